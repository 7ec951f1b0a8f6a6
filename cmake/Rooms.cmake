# A room is a folder of src/ and a static library. What it may look at is what it links: Qt classes
# are included by bare name, so a room without Qt6::Widgets does not find <QWidget>.

# korvane_room(<name> SOURCES <globs>... [PCH <file>] LINK <libraries>...)
function(korvane_room name)
    cmake_parse_arguments(ROOM "" "PCH" "SOURCES;EXCLUDE;LINK" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${ROOM_SOURCES})
    foreach(pattern IN LISTS ROOM_EXCLUDE)
        list(FILTER sources EXCLUDE REGEX "${pattern}")
    endforeach()
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ROOM_LINK})
    if(NOT ROOM_PCH)
        set(ROOM_PCH Core.h)
    endif()
    korvane_pch(${name} ${ROOM_PCH})
endfunction()
