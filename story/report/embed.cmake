# Puts the page together from its TEMPLATE, its STYLES and SCRIPTS, and the library's script and licence, and writes it as
# C++ to OUTPUT. @TITLE@ and @DATA@ stay: they are filled in when a report is written.
cmake_minimum_required(VERSION 3.25)

# Semicolons and brackets of a script mean nothing to string(), as long as it stays one quoted argument.
function(read_all result)
  set(whole "")
  foreach(name IN LISTS ARGN)
    file(READ "${name}" text)
    string(APPEND whole "${text}")
  endforeach()
  set(${result} "${whole}" PARENT_SCOPE)
endfunction()

file(READ "${TEMPLATE}" page)
read_all(style ${STYLES})
read_all(script ${SCRIPTS})
file(READ "${D3_SCRIPT}" d3)
file(READ "${D3_LICENCE}" licence)
string(REPLACE "&" "&amp;" licence "${licence}")
string(REPLACE "<" "&lt;" licence "${licence}")
string(REPLACE "@STYLE@" "${style}" page "${page}")
string(REPLACE "@SCRIPT@" "${script}" page "${page}")
string(REPLACE "@LICENCE@" "${licence}" page "${page}")
string(REPLACE "@D3@" "${d3}" page "${page}")

set(delimiter "page")
set(code "#include \"page.h\"\n\nnamespace TARN::Story {\n\nconst std::string_view kPage = R\"${delimiter}(")
string(APPEND code "${page}")
string(APPEND code ")${delimiter}\";\n\n}  // namespace TARN::Story\n")
file(WRITE "${OUTPUT}" "${code}")
