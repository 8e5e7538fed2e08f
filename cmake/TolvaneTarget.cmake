# Compile settings shared by every target built from our own sources.
function(tolvane_target_defaults target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow=local)
    if(TOLVANE_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS)
endfunction()
