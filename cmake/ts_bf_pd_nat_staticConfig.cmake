# The targets ts::pd, ts::model and others; each brings the folder of pd.h along. None needs another package.
include(${CMAKE_CURRENT_LIST_DIR}/ts_targets.cmake)
