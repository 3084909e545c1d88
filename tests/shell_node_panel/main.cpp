// Kept for the test folders that still name this file as their main.
#include "../shell_common/qapp_main.cpp"
