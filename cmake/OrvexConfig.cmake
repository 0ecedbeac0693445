include("${CMAKE_CURRENT_LIST_DIR}/OrvexTargets.cmake")
