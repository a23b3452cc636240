# Sets the flags of every translation unit of this project, tests and examples included.
function(zyn_compile_options target)
    target_compile_options(${target} PRIVATE
        # A fused multiply-add rounds once instead of twice: results would differ between machines.
        -ffp-contract=off
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual -Wdouble-promotion
        $<$<BOOL:${ZYN_WARNINGS_AS_ERRORS}>:-Werror>)
endfunction()
