# kiv_add_menus(<target> FILES <description.xml>...)
#
# Compiles menu descriptions into <target>: each file becomes generated source (kivmenuc) that
# builds its menus in code and registers them under the file's base name, so
# Mnu_QtMenuBarManager / Mnu_QtManager (and Kiv_MenuBar) find them without the description
# file at run time. The base names must be C++ identifiers. Add them to an executable or a
# shared library: a static library would drop the self-registering objects.
function(kiv_add_menus target)
  cmake_parse_arguments(ARG "" "" "FILES" ${ARGN})
  foreach(description IN LISTS ARG_FILES)
    get_filename_component(path "${description}" ABSOLUTE)
    get_filename_component(name "${description}" NAME_WE)
    set(out "${CMAKE_CURRENT_BINARY_DIR}/${target}_kivmenus/${name}.cpp")
    add_custom_command(OUTPUT "${out}"
      COMMAND kivmenuc "${path}" -o "${out}"
      DEPENDS "${path}" kivmenuc
      COMMENT "Compiling the menu description ${name}"
      VERBATIM)
    target_sources(${target} PRIVATE "${out}")
  endforeach()
endfunction()
