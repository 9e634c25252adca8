# nezaiva::ombrix_sdk   headers of the contract between a host and a plug-in library
# nezaiva::ombrix       the embedded host's runtime, which a plug-in library links to
include("${CMAKE_CURRENT_LIST_DIR}/nezaivaTargets.cmake")
