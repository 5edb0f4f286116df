# hosts_plugins(TARGET): the executable exports exactly what host/ declares to the plug-ins that it loads.
#
# cmake/host_exports.map is written by tests/boundary/host_declarations.py from the headers of host/; the boundary tests
# hold the list, the headers and the executable against each other.
set(host_exports_map ${CMAKE_CURRENT_LIST_DIR}/host_exports.map)

function(hosts_plugins target)
  # A version script, since templates of the standard library that a shared library has as well would be exported beside a
  # --dynamic-list. Position-independent like a library, or std::cout and its like would be copied here, and exported.
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_compile_options(${target} PRIVATE -fPIC)
  target_link_options(${target} PRIVATE LINKER:--export-dynamic LINKER:--version-script=${host_exports_map})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${host_exports_map})
endfunction()
