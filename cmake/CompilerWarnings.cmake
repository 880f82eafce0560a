# Warnings are per target and fatal, so a new warning never slips into main.
function(velora_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()
