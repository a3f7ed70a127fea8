# Checks that the library's folders stack one way: a source under qv/<folder> may include
# headers of its own folder and of folders below it, never of a folder above it.
# Usage: cmake -DQV_ROOT=<dir holding qv/> -P QVCheckLayers.cmake
# Fails (a fatal error listing every offending line) when a lower folder includes a higher one.

set(QV_LAYERS foundation pins component decor axes channels elements waterfall display dialogs platform)

if(NOT QV_ROOT)
  message(FATAL_ERROR "QVCheckLayers: set QV_ROOT to the folder that holds qv/")
endif()

file(GLOB_RECURSE _sources RELATIVE ${QV_ROOT} ${QV_ROOT}/qv/*.h ${QV_ROOT}/qv/*.cpp)
set(_bad "")
foreach(_src IN LISTS _sources)
  string(REGEX MATCH "^qv/([a-z]+)/" _m "${_src}")
  if(NOT _m)
    continue() # the umbrella headers at the top may include anything
  endif()
  set(_own_folder "${CMAKE_MATCH_1}")
  list(FIND QV_LAYERS "${_own_folder}" _own)
  if(_own EQUAL -1)
    string(APPEND _bad "\n  ${_src}: folder '${_own_folder}' has no place in the layer order")
    continue()
  endif()
  file(STRINGS ${QV_ROOT}/${_src} _includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]qv/[a-z]+/")
  foreach(_line IN LISTS _includes)
    string(REGEX MATCH "[<\"]qv/([a-z]+)/" _i "${_line}")
    set(_folder "${CMAKE_MATCH_1}")
    if(_folder STREQUAL "qt")
      set(_folder platform) # <qv/qt/...> is the platform library's public spelling
    endif()
    list(FIND QV_LAYERS "${_folder}" _theirs)
    if(_theirs GREATER _own)
      string(STRIP "${_line}" _line)
      string(APPEND _bad "\n  ${_src}: ${_line} (${_folder} lies above ${_own_folder})")
    endif()
  endforeach()
endforeach()

if(_bad)
  message(FATAL_ERROR "A lower folder includes a higher one:${_bad}")
endif()
list(LENGTH _sources _count)
message(STATUS "Layer order holds for ${_count} sources")
