# Warnings for every target of the project.
function(kiv_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
endfunction()

# kiv_add_test(<name> SOURCES <files...> LIBS <targets...>)
# One QtTest executable per component, registered with CTest and run headless.
function(kiv_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE Qt6::Test ${ARG_LIBS})
  kiv_set_warnings(${name})
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 120
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;XDG_RUNTIME_DIR=${CMAKE_BINARY_DIR}/xdg-runtime;KIV_RESOURCE_DIR=${KIV_SOURCE_RESOURCE_DIR};QT_FATAL_WARNINGS=0")
endfunction()
