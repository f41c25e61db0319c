# The resources where the program finds them, in share/vantor-bar beside its bin: the artwork
# rasterised to NAME.png, NAME@2x.png and NAME@3x.png, the tables as they are.

find_program(RSVG_CONVERT rsvg-convert REQUIRED)  # package librsvg2-bin

set(VANTOR_SHARE_DIR ${CMAKE_BINARY_DIR}/share/vantor-bar)
set(VANTOR_BUNDLE_DIR ${VANTOR_SHARE_DIR}/VantorBar.bundle)
set(VANTOR_ICON_DIR ${CMAKE_BINARY_DIR}/share/icons/hicolor)
file(MAKE_DIRECTORY ${VANTOR_BUNDLE_DIR})

# Rasterises DRAWING into the bundle; the names of the images are added to the list IMAGES.
function(vantor_rasterise DRAWING IMAGES)
    cmake_path(GET DRAWING STEM name)
    set(files)
    set(commands)
    foreach(scale 1 2 3)
        set(ending "@${scale}x.png")
        if(scale EQUAL 1)
            set(ending ".png")
        endif()
        set(file ${VANTOR_BUNDLE_DIR}/${name}${ending})
        list(APPEND files ${file})
        list(APPEND commands COMMAND ${RSVG_CONVERT} --zoom ${scale} --output ${file} ${DRAWING})
    endforeach()
    add_custom_command(OUTPUT ${files} ${commands} DEPENDS ${DRAWING} VERBATIM
                       COMMENT "Rasterising ${name}")
    set(${IMAGES} ${${IMAGES}} ${files} PARENT_SCOPE)
endfunction()

# Copies FILE of Resources to COPY; COPY is added to the list COPIES.
function(vantor_copy FILE COPY COPIES)
    cmake_path(GET COPY PARENT_PATH folder)
    set(original ${CMAKE_SOURCE_DIR}/Resources/${FILE})
    add_custom_command(OUTPUT ${COPY} DEPENDS ${original} VERBATIM COMMENT "Copying ${FILE}"
                       COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
                       COMMAND ${CMAKE_COMMAND} -E copy ${original} ${COPY})
    set(${COPIES} ${${COPIES}} ${COPY} PARENT_SCOPE)
endfunction()

set(images)
file(GLOB drawings CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/Resources/Artwork/menubar/*.svg
     ${CMAKE_SOURCE_DIR}/Resources/Artwork/dropdown/*.svg)
foreach(drawing ${drawings})
    vantor_rasterise(${drawing} images)
endforeach()

set(copies)
file(GLOB_RECURSE tables CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR}/Resources
     ${CMAKE_SOURCE_DIR}/Resources/VantorBarCPU.bundle/*)
foreach(table ${tables})
    vantor_copy(${table} ${VANTOR_SHARE_DIR}/${table} copies)
endforeach()
vantor_copy(citymap.plist ${VANTOR_BUNDLE_DIR}/citymap.plist copies)

# The program's own icon, for menus, in the sizes that they ask for.
set(icon ${CMAKE_SOURCE_DIR}/Resources/Artwork/vantor-bar-cpu.svg)
vantor_copy(Artwork/vantor-bar-cpu.svg ${VANTOR_ICON_DIR}/scalable/apps/vantor-bar-cpu.svg copies)
foreach(size 16 22 24 32 48 64 128 256)
    set(folder ${VANTOR_ICON_DIR}/${size}x${size}/apps)
    add_custom_command(OUTPUT ${folder}/vantor-bar-cpu.png DEPENDS ${icon} VERBATIM
                       COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
                       COMMAND ${RSVG_CONVERT} --width ${size} --height ${size}
                               --output ${folder}/vantor-bar-cpu.png ${icon}
                       COMMENT "Rasterising the icon at ${size} pixels")
    list(APPEND images ${folder}/vantor-bar-cpu.png)
endforeach()

add_custom_target(vantor_artwork ALL DEPENDS ${images} ${copies})
