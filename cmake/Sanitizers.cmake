# One switch builds everything (core, app, simulator, tests) with ASan and UBSan.
option(VELORA_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(VELORA_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
