# What every target of this project is compiled with: link it privately.
add_library(vellumar_options INTERFACE)
target_compile_options(vellumar_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    -Wunused -Wduplicated-cond -Wlogical-op -Wimplicit-fallthrough)
target_compile_definitions(vellumar_options INTERFACE
    QT_DEPRECATED_WARNINGS QT_NO_CAST_TO_ASCII QT_MESSAGELOGCONTEXT)
if(VELLUMAR_WERROR)
    target_compile_options(vellumar_options INTERFACE -Werror)
endif()
if(VELLUMAR_SANITIZE)
    add_compile_options(-fsanitize=${VELLUMAR_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${VELLUMAR_SANITIZE})
endif()
