# What Doxygen is to read instead of the lines that declare a container: its class and its factory.
s!^ZYN_ARRAY\((\w+), (.*)\);!/** Array of <tt>\2</tt>: a TypedArray. */ class \1 {}; /** A new \1 with count 0. */ \1* new\1();!
s!^ZYN_POOL\((\w+), (.*)\);!/** Pool of <tt>\2</tt>: a TypedPool. */ class \1 {}; /** A new \1 with count 0. */ \1* new\1();!
s!^ZYN_POOL_CLASS\((\w+), (.*)\);!/** Pool of <tt>\2</tt>: a TypedPool without a factory. */ class \1 {};!
s!^ZYN_MATRIX\((\w+), (.*)\);!/** Matrix of <tt>\2</tt>: a TypedMatrix. */ class \1 {}; /** A new \1 with count 0. */ \1* new\1();!
# What the compiler makes needs no words.
s!^ *(constexpr |explicit |virtual )*(\w+\(\)|~\w+\(\)|(\w+)\((const )?\w+&+\)|\w+& operator=\((const )?\w+&+\)).* = (default|delete);$!!
# A comment behind several fields at once is for each of them.
:field
s!^(.*; )? *(\w+) (\w+(\[\w+\]|\{\})?), ([^;]*;) +///<(.*)!\1/**\6 */ \2 \3; \2 \5 ///<\6!
t field
# A specialisation of a template that it does not see.
s!^struct std::hash.*!struct ref_ptr_hash {!
