# Writes files as texts of a header: -DHEADER=... -DPARTS=name=file;name=file
set(text "#pragma once\n\n#include <string_view>\n\nnamespace varpre::page_parts {\n")
foreach(part ${PARTS})
  string(REGEX MATCH "^([a-z]+)=(.*)$" matched "${part}")
  set(name ${CMAKE_MATCH_1})
  file(READ ${CMAKE_MATCH_2} hex HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
  string(APPEND text "\ninline constexpr char ${name}_bytes[] = {${bytes}};\n"
    "inline constexpr std::string_view ${name}{${name}_bytes, sizeof ${name}_bytes};\n")
endforeach()
file(WRITE ${HEADER} "${text}\n}  // namespace varpre::page_parts\n")
