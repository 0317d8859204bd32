# Which warnings the compiler gives, and for which compilers they are errors. The one place where that is decided.

# Another compiler, and a newer one most of all, knows warnings that nobody here has met: they are shown, and stop
# nothing. So these are the compilers of the two releases we build on, and the one of ./dev check, to the minor version.
set(QUILLMERE_PINNED_COMPILERS GNU-12.2 GNU-14.2 Clang-19.1)

# quillmere_warning_options(<result> <wanted> <compiler id> <compiler version>): the options for our own sources.
# wanted says whether warnings should be errors at all.
function(quillmere_warning_options result wanted id version)
  set(options -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
  string(REGEX MATCH "^[0-9]+\\.[0-9]+" minor "${version}")
  if(wanted AND "${id}-${minor}" IN_LIST QUILLMERE_PINNED_COMPILERS)
    list(APPEND options -Werror)
  endif()
  set(${result} ${options} PARENT_SCOPE)
endfunction()
