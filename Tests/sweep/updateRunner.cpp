// What a service does with one component, as a process of its own: it can be killed in the middle of it.
// usage: update_runner COMPONENT STEP...   steps: ask, update; prints the result of each on a line of its own
#include "sweep/Components.hpp"

#include <pal/AaConfig.h>

#include <iostream>
#include <string>

int main(int argc, char** argv) {
    const mox::sweep::Component* component = argc > 2 ? mox::sweep::findComponent(argv[1]) : nullptr;
    if (component == nullptr)
        return 2;
    if (AaConfigEarlyStartup() != EAaConfigRetVal_NoError)
        return 1;
    for (int i = 2; i < argc; ++i) {
        const std::string step = argv[i];
        char path[128] = "";
        if (step == "ask")
            std::cout << component->ask(mox::sweep::imageDirectory, path, sizeof path) << std::endl;
        else if (step == "update")
            std::cout << component->update(mox::sweep::imagePath(*component).c_str()) << std::endl;
        else
            return 2;
    }
    return 0;
}
