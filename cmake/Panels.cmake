# The item in panels of others: a shared object with the program in it, and a small plug-in for each
# panel, which opens that from beside itself. In the build folder all of them, with the files that
# tell the panels of them, are below VANTOR_PANELS_DIR.

include(GNUInstallDirs)
enable_language(C)
pkg_check_modules(GTK_ALONE REQUIRED IMPORTED_TARGET gtk+-3.0)
pkg_check_modules(XFCE_PANEL IMPORTED_TARGET libxfce4panel-2.0)
pkg_check_modules(MATE_PANEL IMPORTED_TARGET libmatepanelapplet-4.0)

set(VANTOR_PANELS_DIR ${CMAKE_BINARY_DIR}/share/panels)
set(VANTOR_PRIVATE_LIBRARY_DIR ${CMAKE_INSTALL_FULL_LIBDIR}/vantor-bar)
set(panels ${CMAKE_SOURCE_DIR}/Resources/Panels)

file(GLOB panel_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/Hosts/Panel/PanelAppearance.cpp
     ${CMAKE_SOURCE_DIR}/Hosts/Panel/PanelDirectories.cpp
     ${CMAKE_SOURCE_DIR}/Hosts/Panel/PanelSession.cpp
     ${CMAKE_SOURCE_DIR}/Hosts/Panel/Toolkit/*.cpp ${CMAKE_SOURCE_DIR}/Hosts/Gtk/Menus/*.cpp)
add_library(vantor_panel MODULE ${panel_sources})
set_target_properties(vantor_panel PROPERTIES OUTPUT_NAME vantor-panel
                      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
target_link_libraries(vantor_panel PRIVATE vantor_hosts PkgConfig::GTK)
target_compile_definitions(vantor_panel PRIVATE
                           VANTOR_RESOURCES_DIR="${VANTOR_RESOURCES_DIR}")

# What all plug-ins need to find it.
add_library(vantor_panel_library STATIC Hosts/Panel/PanelLibrary.cpp Foundation/OwnFile.cpp Foundation/OwnModule.cpp)
target_link_libraries(vantor_panel_library PUBLIC vantor_options PkgConfig::GTK_ALONE
                      ${CMAKE_DL_LIBS})

add_custom_target(vantor_panels ALL DEPENDS vantor_panel)

# A plug-in NAME of these SOURCES, linked to LINK; it lies beside the shared object.
function(vantor_plugin NAME)
    cmake_parse_arguments(PLUGIN "" "OUTPUT_NAME" "SOURCES;LINK" ${ARGN})
    add_library(${NAME} MODULE ${PLUGIN_SOURCES})
    set_target_properties(${NAME} PROPERTIES OUTPUT_NAME ${PLUGIN_OUTPUT_NAME}
                          LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
                          BUILD_RPATH ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
                          INSTALL_RPATH ${VANTOR_PRIVATE_LIBRARY_DIR})
    target_link_libraries(${NAME} PRIVATE vantor_panel_library ${PLUGIN_LINK})
    add_dependencies(vantor_panels ${NAME})
endfunction()

if(XFCE_PANEL_FOUND)
    vantor_plugin(vantor_xfce OUTPUT_NAME vantor-xfce LINK PkgConfig::XFCE_PANEL
                  SOURCES Hosts/Panel/Xfce/XfcePlugin.cpp Hosts/Panel/Xfce/register.c)
    set_source_files_properties(Hosts/Panel/Xfce/register.c PROPERTIES
                                COMPILE_OPTIONS -w)  # the panel's macro, not ours
    configure_file(${panels}/vantorbar.desktop ${VANTOR_PANELS_DIR}/xfce4/panel/plugins/vantorbar.desktop
                   COPYONLY)
endif()
if(MATE_PANEL_FOUND)
    vantor_plugin(vantor_mate OUTPUT_NAME vantor-mate LINK PkgConfig::MATE_PANEL
                  SOURCES Hosts/Panel/Mate/MateApplet.cpp)
    target_compile_definitions(vantor_mate PRIVATE GDK_DISABLE_DEPRECATION_WARNINGS)
    set(applet com.kolbrin.vantorbar.mate-panel-applet)
    set(VANTOR_MATE_MODULE ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libvantor-mate.so)
    configure_file(${panels}/${applet}.in ${VANTOR_PANELS_DIR}/mate-panel/applets/${applet} @ONLY)
    set(VANTOR_MATE_MODULE ${VANTOR_PRIVATE_LIBRARY_DIR}/libvantor-mate.so)
    configure_file(${panels}/${applet}.in ${CMAKE_BINARY_DIR}/panels/${applet} @ONLY)
endif()
vantor_plugin(vantor_waybar OUTPUT_NAME vantor-waybar LINK PkgConfig::GTK_ALONE
              SOURCES Hosts/Panel/Waybar/WaybarModule.cpp)
