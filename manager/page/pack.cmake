# Writes FILES of FOLDER as data of a C++ source.
set(types_html "text/html; charset=utf-8")
set(types_css "text/css; charset=utf-8")
set(types_js "text/javascript; charset=utf-8")
set(types_svg "image/svg+xml")
set(data "")
set(rows "")
foreach(file ${FILES})
  file(READ ${FOLDER}/${file} bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  string(MAKE_C_IDENTIFIER ${file} name)
  string(APPEND data "constexpr char ${name}[] = {${bytes}};\n")
  cmake_path(GET file EXTENSION LAST_ONLY extension)
  string(SUBSTRING "${extension}" 1 -1 extension)
  set(path "/${file}")
  if(file STREQUAL index.html)
    set(path "/")
  endif()
  string(APPEND rows "    {\"${path}\", \"${types_${extension}}\", {${name}, sizeof ${name}}},\n")
endforeach()
file(WRITE ${OUT} "#include \"page/PageFiles.h\"

namespace ZebManager {
namespace {

${data}
constexpr PageFile kFiles[] = {
${rows}};

}  // namespace

std::span<const PageFile> pageFiles() {
  return kFiles;
}

}  // namespace ZebManager
")
