# Compiler settings that every target of this project shares.

add_library(yxhelp_options INTERFACE)
target_compile_definitions(yxhelp_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_USE_QSTRINGBUILDER
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050e00
    # File, line and function in messages of the log in release builds too.
    QT_MESSAGELOGCONTEXT)

if(MSVC)
    target_compile_options(yxhelp_options INTERFACE /W4 /utf-8 /permissive- $<$<BOOL:${YXHELP_WERROR}>:/WX>)
else()
    target_compile_options(yxhelp_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
        $<$<BOOL:${YXHELP_WERROR}>:-Werror>)
endif()

# Sanitizers come in through a preset: "address;undefined" or "thread".
set(YXHELP_SANITIZE "" CACHE STRING "Sanitizers to build with, separated by semicolons")
if(YXHELP_SANITIZE)
    string(REPLACE ";" "," sanitizers "${YXHELP_SANITIZE}")
    add_compile_options(-fsanitize=${sanitizers} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${sanitizers})
endif()
