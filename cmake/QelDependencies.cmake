# What the four libraries need from outside.
find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED)

# A 32-bit build beside a 64-bit system takes the two libraries that are linked from packages unpacked here, or from
# the system where they are installed for i386; their headers are the same on both.
set(QEL_I386_SYSROOT "" CACHE PATH "Where i386 packages are unpacked, for a build with -m32")

add_library(QelUuid INTERFACE)
add_library(QelPugixml INTERFACE)
if(QEL_I386_SYSROOT)
    set(where ${QEL_I386_SYSROOT}/usr/lib/i386-linux-gnu /usr/lib/i386-linux-gnu)
    # By its runtime name, which needs no development package.
    find_file(QEL_UUID_LIBRARY libuuid.so.1 PATHS ${where} NO_DEFAULT_PATH REQUIRED)
    find_library(QEL_PUGIXML_LIBRARY pugixml PATHS ${where} NO_DEFAULT_PATH REQUIRED)
else()
    find_library(QEL_UUID_LIBRARY uuid REQUIRED)
    find_library(QEL_PUGIXML_LIBRARY pugixml REQUIRED)
endif()
target_link_libraries(QelUuid INTERFACE ${QEL_UUID_LIBRARY})
target_link_libraries(QelPugixml INTERFACE ${QEL_PUGIXML_LIBRARY})
