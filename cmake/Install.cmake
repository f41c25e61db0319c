# Where everything goes when it's installed. A component is what one package holds; one whose
# target isn't built has nothing to install, and is named in absent-components.

include(GNUInstallDirs)

# What a program opens when it needs it. It finds it by a run path of its own, so that what was
# installed can be moved as a whole.
set(VANTOR_MODULE_DIR ${CMAKE_INSTALL_LIBDIR}/vantor-bar)

set(absent vantor-bar vantor-bar-gtk vantor-bar-preferences vantor-bar-panel vantor-bar-xfce
           vantor-bar-mate vantor-bar-waybar)

# Installs TARGET as a part of COMPONENT in FOLDER, or nothing where there is no such target.
# Further FILES, of the source unless they say otherwise, go with it: each is followed by the folder
# that it goes to.
function(vantor_install COMPONENT TARGET FOLDER)
    cmake_parse_arguments(PARSE_ARGV 3 INSTALL "" "" "FILES")
    if(NOT TARGET ${TARGET})
        return()
    endif()
    file(RELATIVE_PATH way /prefix/${FOLDER} /prefix/${VANTOR_MODULE_DIR})
    set_target_properties(${TARGET} PROPERTIES INSTALL_RPATH "$ORIGIN/${way}")
    install(TARGETS ${TARGET} COMPONENT ${COMPONENT} RUNTIME DESTINATION ${FOLDER}
            LIBRARY DESTINATION ${FOLDER})
    while(INSTALL_FILES)
        list(POP_FRONT INSTALL_FILES file folder)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
        install(FILES ${file} DESTINATION ${folder} COMPONENT ${COMPONENT})
    endwhile()
    list(REMOVE_ITEM absent ${COMPONENT})
    set(absent ${absent} PARENT_SCOPE)
endfunction()

set(manual1 ${CMAKE_INSTALL_MANDIR}/man1)
set(applications ${CMAKE_INSTALL_DATADIR}/applications)

# The program itself, with what it paints and all that it reads.
vantor_install(vantor-bar vantorbar ${CMAKE_INSTALL_BINDIR}
    FILES Documentation/Manual/vantorbar.1 ${manual1}
          Resources/Desktop/com.kolbrin.vantorbar.cpu.metainfo.xml ${CMAKE_INSTALL_DATADIR}/metainfo
          Resources/Completions/_vantorbar ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
          Resources/Completions/vantorbar.fish ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
          Resources/Completions/vantorbar ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
vantor_install(vantor-bar vantor_painting_engine ${VANTOR_MODULE_DIR})
install(DIRECTORY ${VANTOR_SHARE_DIR}/ COMPONENT vantor-bar
        DESTINATION ${CMAKE_INSTALL_DATADIR}/vantor-bar)
install(DIRECTORY ${CMAKE_BINARY_DIR}/share/icons COMPONENT vantor-bar
        DESTINATION ${CMAKE_INSTALL_DATADIR})

# The daemon, and how buses start it: there the service file and the unit name it by its full path,
# which is known when it's installed.
vantor_install(vantor-bar vantorbar-daemon ${CMAKE_INSTALL_LIBEXECDIR}
    FILES Documentation/Manual/vantorbar-daemon.8 ${CMAKE_INSTALL_MANDIR}/man8
          Resources/Services/com.kolbrin.vantorbardaemon.conf
          ${CMAKE_INSTALL_DATADIR}/dbus-1/system.d)
set(services ${CMAKE_SOURCE_DIR}/Resources/Services)
set(to_install ${CMAKE_BINARY_DIR}/services)
install(CODE "
    set(VANTOR_DAEMON \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBEXECDIR}/vantorbar-daemon\")
    set(VANTOR_DAEMON_UNIT \"SystemdService=vantorbar-daemon.service\\n\")
    foreach(service com.kolbrin.vantorbardaemon.service vantorbar-daemon.service)
        configure_file(\"${services}/\${service}.in\" \"${to_install}/\${service}\" @ONLY)
    endforeach()" COMPONENT vantor-bar)
install(FILES ${to_install}/com.kolbrin.vantorbardaemon.service COMPONENT vantor-bar
        DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
install(FILES ${to_install}/vantorbar-daemon.service COMPONENT vantor-bar
        DESTINATION lib/systemd/user)

# Bars of our own, which start with the desktop.
vantor_install(vantor-bar-gtk vantor_bar_toolkit ${VANTOR_MODULE_DIR}
    FILES Resources/Desktop/vantor-bar-cpu.desktop ${applications}
          Resources/Desktop/vantor-bar-cpu.desktop ${CMAKE_INSTALL_SYSCONFDIR}/xdg/autostart)

vantor_install(vantor-bar-preferences vantorbar-preferences ${CMAKE_INSTALL_BINDIR}
    FILES Documentation/Manual/vantorbar-preferences.1 ${manual1}
          Resources/Desktop/com.kolbrin.vantorbar.preferences.desktop ${applications})

# The item in panels of others: what all of them open, and the plug-in of each, where the panel
# looks for it.
vantor_install(vantor-bar-panel vantor_panel ${VANTOR_MODULE_DIR})
vantor_install(vantor-bar-xfce vantor_xfce ${CMAKE_INSTALL_LIBDIR}/xfce4/panel/plugins
    FILES Resources/Panels/vantorbar.desktop ${CMAKE_INSTALL_DATADIR}/xfce4/panel/plugins)
vantor_install(vantor-bar-mate vantor_mate ${VANTOR_MODULE_DIR}
    FILES ${CMAKE_BINARY_DIR}/panels/com.kolbrin.vantorbar.mate-panel-applet
          ${CMAKE_INSTALL_DATADIR}/mate-panel/applets)
vantor_install(vantor-bar-waybar vantor_waybar ${VANTOR_MODULE_DIR})

file(WRITE ${CMAKE_BINARY_DIR}/absent-components "${absent}")
