# find_package(vornsr) gives vornsr::vornsr (shared) and vornsr::vornsr-static.
include(${CMAKE_CURRENT_LIST_DIR}/vornsrTargets.cmake)
