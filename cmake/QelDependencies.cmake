# What the four libraries need from outside.  On i386 no development packages of that architecture are needed but
# pugixml's; libuuid is linked by its runtime name, since its headers are the same on both.
find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED)

add_library(QelUuid INTERFACE)
add_library(QelPugixml INTERFACE)
if(CMAKE_CXX_FLAGS MATCHES "-m32")
    target_link_libraries(QelUuid INTERFACE -l:libuuid.so.1)
    find_library(QEL_PUGIXML_I386 pugixml PATHS /usr/lib/i386-linux-gnu NO_DEFAULT_PATH REQUIRED)
    target_link_libraries(QelPugixml INTERFACE ${QEL_PUGIXML_I386})
else()
    target_link_libraries(QelUuid INTERFACE uuid)
    target_link_libraries(QelPugixml INTERFACE pugixml)
endif()
