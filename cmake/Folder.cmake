# One library target per folder.
#
#   add_folder(engine SOURCES output_names.cpp HEADERS output_names.h
#              PUBLIC primitives::lib PRIVATE platform_files::lib)
#
# A target's include path holds links to its own folder and, through
# target_link_libraries, to the folders it links. The repository root is never on
# the path, so an include that the link list does not allow fails to compile.
function(add_folder name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;PUBLIC;PRIVATE" ${ARGN})
  folder_view(${name} view folder)
  list(TRANSFORM ARG_HEADERS PREPEND ${view}/${folder}/)

  add_library(${name} STATIC ${ARG_SOURCES})
  add_library(${name}::lib ALIAS ${name})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${view} FILES ${ARG_HEADERS})
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} build_options)
endfunction()

# A shared library that is loaded when its service is first asked for, because what it links takes
# many milliseconds to load. It stands in build/<preset>/bin/modules and exports one C function.
#
#   add_module(tolvane-images SOURCES vips_decoder.cpp PRIVATE platform_images::lib PkgConfig::VIPS)
function(add_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PRIVATE" ${ARGN})
  folder_view(${name} view folder)
  add_library(${name} MODULE ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${view})
  target_link_libraries(${name} PRIVATE ${ARG_PRIVATE} build_options)
  set_target_properties(${name} PROPERTIES
    PREFIX "" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin/modules)
  set_property(GLOBAL APPEND PROPERTY TOLVANE_MODULES ${name})
endfunction()

# Makes a folder that shows the calling folder, and nothing else, under its path from the root.
function(folder_view name view_variable folder_variable)
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  set(view ${PROJECT_BINARY_DIR}/views/${name})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${view}/${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${folder} SYMBOLIC)
  set(${view_variable} ${view} PARENT_SCOPE)
  set(${folder_variable} ${folder} PARENT_SCOPE)
endfunction()
