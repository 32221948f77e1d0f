# Joins the page scripts into one C++ source. Called at build time:
#   cmake -DSCRIPTS="a.js;b.js" -DOUTPUT=file.cpp -P JoinScripts.cmake
# Each module becomes a string literal of its own: compilers limit the length of one.
set(literals "")
foreach(script IN LISTS SCRIPTS)
  file(READ ${script} text)
  string(APPEND literals "    text += QString::fromUtf8(R\"SurfaceJs(\n${text})SurfaceJs\");\n")
endforeach()
file(WRITE ${OUTPUT}
"// Made by cmake/JoinScripts.cmake from the modules in platform/surface/scripts.
#include \"platform/surface/SurfaceScripts.h\"

QString SurfaceScripts()
{
    QString text;
${literals}    return text;
}
")
