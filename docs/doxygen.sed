# What Doxygen is to read instead of the lines that declare a container: its class and its factory.
s!^ZYN_POOL_CLASS\((\w+), ([^)]*)\);!/** Pool of <tt>\2</tt>: TypedPool<\1, \2>, without a factory. */ class \1 : public TypedPool {};!
s!^ZYN_(ARRAY|POOL|MATRIX)\((\w+), .*\);!&/** A new \2 with count 0. */ \2* new\2();!
s!^ZYN_ARRAY\((\w+), ([^)]*)\);!/** Array of <tt>\2</tt>: TypedArray<\1, \2>. */ class \1 : public TypedArray {};!
s!^ZYN_POOL\((\w+), ([^)]*)\);!/** Pool of <tt>\2</tt>: TypedPool<\1, \2>. */ class \1 : public TypedPool {};!
s!^ZYN_MATRIX\((\w+), ([^)]*)\);!/** Matrix of <tt>\2</tt>: TypedMatrix<\1, \2>. */ class \1 : public TypedMatrix {};!
# What the compiler makes needs no words.
s!^ *(constexpr |explicit |virtual )*(\w+\(\)|~\w+\(\)|(\w+)\((const )?\w+&+\)|\w+& operator=\((const )?\w+&+\)).* = (default|delete);$!!
# What only make() calls.
s!^constexpr auto factoryOf\(.*!!
# A comment behind several fields at once is for each of them.
:field
s!^(.*; )? *(\w+) (\w+(\[\w+\]|\{\})?), ([^;]*;) +///<(.*)!\1/**\6 */ \2 \3; \2 \5 ///<\6!
t field
# A specialisation of a template that it does not see.
s!^/// The hash of the address\.$!/** @cond */!
/^struct std::hash/,/^};/s!^};!};\n/** @endcond */!
