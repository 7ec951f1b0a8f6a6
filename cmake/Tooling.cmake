# Compiler cache, linker, warnings and sanitizers, for every target alike.

find_program(CCACHE ccache)
if(CCACHE)
    # The cache believes in a precompiled header only when told so.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
    add_compile_options(-fpch-preprocess)
endif()

find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra)
# Members named in a designated initialiser are all that a table row has to say.
add_compile_options(-Wno-missing-field-initializers)
if(KORVANE_WERROR)
    add_compile_options(-Werror)
endif()
if(KORVANE_SANITIZE)
    # Optimised, the checks take a compiler five times as long; lines are all a report needs.
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -g1)
    add_link_options(-fsanitize=address,undefined)
endif()

add_compile_definitions(QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# korvane_pch(<target> <file>): reads the headers of cmake/pch/<file> once for the whole target.
function(korvane_pch target file)
    if(KORVANE_PCH)
        target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/pch/${file})
    endif()
endfunction()
