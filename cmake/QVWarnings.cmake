# Warning set shared by every target of the project.
add_library(qv_warnings INTERFACE)
target_compile_options(qv_warnings INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor
    -Woverloaded-virtual -Wno-unused-parameter>)
install(TARGETS qv_warnings EXPORT QVScopeTargets)
