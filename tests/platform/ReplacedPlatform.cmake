# Copies platform/, makes it a client's own by two changes, and builds the library against it.
file(REMOVE_RECURSE "${BINARY_DIR}")
file(COPY "${SOURCE_DIR}/platform/" DESTINATION "${BINARY_DIR}/platform")

function(change file from to)
    file(READ "${BINARY_DIR}/platform/${file}" text)
    string(FIND "${text}" "${from}" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "${file} no longer holds: ${from}")
    endif()
    string(REPLACE "${from}" "${to}" text "${text}")
    file(WRITE "${BINARY_DIR}/platform/${file}" "${text}")
endfunction()
change(StringUtils.cpp "text = list.first()" "text = QStringLiteral(\"the client's: \") + list.first()")
change(CMakeLists.txt "OBJECT" "STATIC")

file(WRITE "${BINARY_DIR}/client/main.cpp" [[
#include <Vokit/StringUtils>
#include <Vokit/TypedProperties>
#include <cstdio>
int main()
{
    QString text;
    QTextStream stream(&text);
    vogen::StringListProperty("p", "", {"a", "b"}).dump(stream);
    stream.flush();
    std::puts(qPrintable(text + vo::StringUtils::join({"c"}, ";")));
}
]])
file(WRITE "${BINARY_DIR}/client/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.25)
project(Client CXX)
find_package(Vokit CONFIG REQUIRED)
add_executable(client main.cpp)
target_link_libraries(client PRIVATE Vokit::Vokit)
]])

include("${CMAKE_CURRENT_LIST_DIR}/../support/Run.cmake")
run(${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${BINARY_DIR}/build" -G "${GENERATOR}"
    -DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS=${CXX_FLAGS} -O0 -g0"
    "-DVOKIT_PLATFORM_DIR=${BINARY_DIR}/platform" -DVOKIT_BUILD_TESTS=OFF -DVOKIT_BUILD_EXAMPLES=OFF)
run(${CMAKE_COMMAND} --build "${BINARY_DIR}/build")
# Against the build tree, as a client may.
run(${CMAKE_COMMAND} -S "${BINARY_DIR}/client" -B "${BINARY_DIR}/client/build" -G "${GENERATOR}"
    "-DVokit_DIR=${BINARY_DIR}/build" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}")
run(${CMAKE_COMMAND} --build "${BINARY_DIR}/client/build")
run("${BINARY_DIR}/client/build/client")
foreach(expected "Property value: the client's: a,b" "the client's: c")
    string(FIND "${output}" "${expected}" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "expected '${expected}' in:\n${output}")
    endif()
endforeach()
