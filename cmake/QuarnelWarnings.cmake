# SPDX-License-Identifier: MIT
# Warnings are kept high on every target of the project.
function(quarnel_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4)
    if(QUARNEL_WERROR)
      target_compile_options(${target} PRIVATE /WX)
    endif()
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wpedantic -Wshadow -Wconversion
      -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
      $<$<COMPILE_LANGUAGE:C>:-Wno-old-style-cast>)
    if(QUARNEL_WERROR)
      target_compile_options(${target} PRIVATE -Werror)
    endif()
  endif()
endfunction()
