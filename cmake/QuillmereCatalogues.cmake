# The texts of the program that links no toolkit, for the C library's gettext; docs/translation.md

# quillmere_catalogues(<target> <folder>)
# Compiles resources/translations/*.po to <folder>/<language>/LC_MESSAGES/quillmere.mo, and one of the English source texts,
# which stands for what a list of languages means by "en".
function(quillmere_catalogues target folder)
  find_program(QUILLMERE_XGETTEXT xgettext REQUIRED)
  find_program(QUILLMERE_MSGEN msgen REQUIRED)
  find_program(QUILLMERE_MSGFMT msgfmt REQUIRED)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/shell/*.cpp" "${CMAKE_SOURCE_DIR}/state/*.cpp")
  file(GLOB catalogues CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/translations/*.po")
  set(english "${folder}/en/LC_MESSAGES/quillmere.mo")
  set(work "${CMAKE_CURRENT_BINARY_DIR}/${target}")
  file(MAKE_DIRECTORY "${work}")
  # The same words as in scripts/translations.
  add_custom_command(OUTPUT "${english}" DEPENDS ${sources} VERBATIM
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}/en/LC_MESSAGES"
    COMMAND "${QUILLMERE_XGETTEXT}" --language=C++ --from-code=UTF-8 --no-location --keyword --keyword=translated:1
      --keyword=translatedCount:1,2 --flag=translated:1:no-c-format --flag=translatedCount:1:no-c-format
      --flag=translatedCount:2:no-c-format --output "${work}/quillmere.pot" ${sources}
    COMMAND "${QUILLMERE_MSGEN}" --lang=en --output-file "${work}/en.po" "${work}/quillmere.pot"
    COMMAND "${QUILLMERE_MSGFMT}" --output-file "${english}" "${work}/en.po")
  set(compiled "${english}")
  foreach(catalogue IN LISTS catalogues)
    get_filename_component(language "${catalogue}" NAME_WLE)
    set(output "${folder}/${language}/LC_MESSAGES/quillmere.mo")
    add_custom_command(OUTPUT "${output}" DEPENDS "${catalogue}" VERBATIM
      COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}/${language}/LC_MESSAGES"
      COMMAND "${QUILLMERE_MSGFMT}" --check --output-file "${output}" "${catalogue}")
    list(APPEND compiled "${output}")
  endforeach()
  add_custom_target(${target} ALL DEPENDS ${compiled})
endfunction()
