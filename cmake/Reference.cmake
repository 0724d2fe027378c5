# The reference, generated from the headers: HTML and man pages (target reference).
find_package(Doxygen REQUIRED)

set(DOXYGEN_PROJECT_NAME vornsr)
set(DOXYGEN_PROJECT_BRIEF ${PROJECT_DESCRIPTION})
set(DOXYGEN_GENERATE_HTML YES)
set(DOXYGEN_GENERATE_MAN YES)
set(DOXYGEN_MAN_EXTENSION .3)
set(DOXYGEN_MAN_LINKS YES)
set(DOXYGEN_OPTIMIZE_OUTPUT_FOR_C YES)
set(DOXYGEN_EXTRACT_ALL YES)  # a family has one comment block; its members are listed with it
set(DOXYGEN_HAVE_DOT NO)
set(DOXYGEN_JAVADOC_AUTOBRIEF YES)
set(DOXYGEN_ENABLE_PREPROCESSING YES)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
set(DOXYGEN_PREDEFINED "VORN_BEGIN_DECLS=" "VORN_END_DECLS=")
set(DOXYGEN_WARN_AS_ERROR NO)
set(DOXYGEN_QUIET YES)
set(DOXYGEN_DISTRIBUTE_GROUP_DOC NO)
set(DOXYGEN_REPEAT_BRIEF YES)
set(DOXYGEN_SORT_MEMBER_DOCS NO)
# Each function gets its row of the table of extents in words, and each reference the name of its page.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(DOXYGEN_FILTER_PATTERNS
    "\"*.h=${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/tools/extents.py --doxygen\"")
set(DOXYGEN_LAYOUT_FILE ${CMAKE_CURRENT_SOURCE_DIR}/docs/DoxygenLayout.xml)
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE ${CMAKE_CURRENT_SOURCE_DIR}/docs/reference.md)
set(DOXYGEN_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/reference)
doxygen_add_docs(reference include README.md CONTRIBUTING.md docs
    examples/spoken-digits/README.md examples/spoken-digits/data/ATTRIBUTION.md examples/who-speaks/README.md
    examples/noisy-digits/README.md
    ALL COMMENT "Writing the reference")
install(DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/reference/html DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/reference/man/man3 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT development
    FILES_MATCHING PATTERN "vorn*" PATTERN "Vorn*")
