set {FRONT_WINDOW, FRONT_WINDOW_ID, FRONT_TAB, FRONT_TAB_ID} to my getFrontVars()
set nativeTab to FRONT_TAB
