# Warning set shared by every target of the project. QV_WERROR turns warnings into errors:
# the CI build sets it; a user's build does not. The target is the build tree's own and never
# part of the installed package (targets link it through $<BUILD_INTERFACE:...>).
option(QV_WERROR "Treat compiler warnings as errors" OFF)
add_library(qv_warnings INTERFACE)
target_compile_options(qv_warnings INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual
    -Wno-unused-parameter $<$<BOOL:${QV_WERROR}>:-Werror>>
  $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>)
