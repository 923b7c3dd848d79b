#include <mox/Board.h>

const char* getAdetStateStr(int state) {
    switch (state) {
    case 0:
        return "Ready";
    case 1:
        return "UnInitialized";
    case 2:
        return "UnPlugged";
    case 3:
        return "SwUpgrade";
    case 4:
        return "Timeout";
    case 5:
        return "HiZ";
    case 6:
        return "Sleep";
    case 7:
        return "Plugged";
    case 10:
        return "TookOver";
    default:
        return "Unknown";
    }
}
