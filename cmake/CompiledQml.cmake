# QML files for a library: as resources under a prefix, and compiled ahead of time, because a user's
# first start would otherwise wait for their compilation, and each later one look up what was kept.
#
#   compiled_qml(QML_SOURCES /tolvane qml/Interface.qml qml/Page.qml)
#
# Sets QML_SOURCES to what the library has to compile. In a folder called interface, it must call
# Q_INIT_RESOURCE(interface) and Q_INIT_RESOURCE(qmlcache_interface) before it loads a file.
function(compiled_qml sources_variable prefix)
  get_filename_component(name ${CMAKE_CURRENT_SOURCE_DIR} NAME)
  unset(sources)
  unset(paths)
  unset(entries)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/compiled_qml)
  file(MAKE_DIRECTORY ${folder})
  foreach(file IN LISTS ARGN)
    get_filename_component(base ${file} NAME)
    set(source ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    add_custom_command(OUTPUT ${folder}/${base}.cpp DEPENDS ${source} VERBATIM
      COMMAND Qt6::qmlcachegen --only-bytecode --resource-path ${prefix}/${base}
              -o ${folder}/${base}.cpp ${source})
    list(APPEND sources ${folder}/${base}.cpp)
    list(APPEND paths ${prefix}/${base})
    string(REPLACE "&" "&amp;" entry "${source}")
    string(REPLACE "<" "&lt;" entry "${entry}")
    string(APPEND entries "<file alias=\"${base}\">${entry}</file>")
  endforeach()
  set(resources ${folder}/${name}.qrc)
  file(CONFIGURE OUTPUT ${resources}
    CONTENT "<RCC><qresource prefix=\"${prefix}\">${entries}</qresource></RCC>\n")
  qt_add_resources(sources ${resources})
  # The compiler knows by the end of its name that this file is to hold the table of the others.
  set(table ${folder}/${name}_qmlcache_loader.cpp)
  add_custom_command(OUTPUT ${table} DEPENDS ${resources} VERBATIM
    COMMAND Qt6::qmlcachegen --resource-name qmlcache_${name} --resource ${resources}
            -o ${table} ${paths})
  set(${sources_variable} ${sources} ${table} PARENT_SCOPE)
endfunction()
