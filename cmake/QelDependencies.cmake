# Dependencies of the four libraries.
find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED)

# A 32-bit build on a 64-bit system uses the i386 versions of the two linked libraries, either from packages unpacked in
# this directory or from the system.  Their headers do not depend on the architecture.
set(QEL_I386_SYSROOT "" CACHE PATH "Directory of unpacked i386 packages, for a build with -m32")

add_library(QelUuid INTERFACE)
add_library(QelPugixml INTERFACE)
if(QEL_I386_SYSROOT)
    set(where ${QEL_I386_SYSROOT}/usr/lib/i386-linux-gnu /usr/lib/i386-linux-gnu)
    # The runtime name exists without the development package.
    find_file(QEL_UUID_LIBRARY libuuid.so.1 PATHS ${where} NO_DEFAULT_PATH REQUIRED)
    find_library(QEL_PUGIXML_LIBRARY pugixml PATHS ${where} NO_DEFAULT_PATH REQUIRED)
else()
    find_library(QEL_UUID_LIBRARY uuid REQUIRED)
    find_library(QEL_PUGIXML_LIBRARY pugixml REQUIRED)
endif()
target_link_libraries(QelUuid INTERFACE ${QEL_UUID_LIBRARY})
target_link_libraries(QelPugixml INTERFACE ${QEL_PUGIXML_LIBRARY})
