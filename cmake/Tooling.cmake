# Compiler cache, linker, warnings and sanitizers, for every target alike.

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
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
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=address,undefined)
endif()

add_compile_definitions(QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
