# Warnings are per target and fatal, so a new warning never slips into main.
# Clang calls QtTest's QTEST_*_MAIN macros with an empty variadic argument a GNU extension under
# -Wpedantic; GCC does not. The flag set is therefore per compiler rather than weakened for all.
set(VELORA_WARNINGS -Wall -Wextra -Wpedantic -Werror)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    list(APPEND VELORA_WARNINGS -Wno-gnu-zero-variadic-macro-arguments)
endif()

function(velora_set_warnings target)
    target_compile_options(${target} PRIVATE ${VELORA_WARNINGS})
endfunction()
