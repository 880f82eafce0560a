# libFuzzer targets (tests/fuzz) need clang. With VELORA_FUZZ the whole build is instrumented for
# coverage and runs under AddressSanitizer and UndefinedBehaviorSanitizer, so a finding inside the
# core shows where it happens. Off by default: the normal build is unchanged.
option(VELORA_FUZZ "Build the libFuzzer targets (needs clang)" OFF)
if(VELORA_FUZZ)
    include(CheckCXXSourceCompiles)
    set(CMAKE_REQUIRED_FLAGS -fsanitize=fuzzer)
    check_cxx_source_compiles(
        "#include <cstddef>
         #include <cstdint>
         extern \"C\" int LLVMFuzzerTestOneInput(const uint8_t*, size_t) { return 0; }"
        VELORA_HAS_LIBFUZZER)
    unset(CMAKE_REQUIRED_FLAGS)
    if(NOT VELORA_HAS_LIBFUZZER)
        message(FATAL_ERROR "VELORA_FUZZ needs a compiler with -fsanitize=fuzzer: configure with "
                            "CXX=clang++ (Debian: apt-get install clang libclang-rt-14-dev)")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined
                        -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
