#include "HostPlatform.h"
#include "HostSession.h"
#include "VentaroApp.h"

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    try {
        ventaro::Platform& platform =
            ventaro::Platform::install(ventaro::makeHostPlatform(false).platform);
        platform.session = ventaro::makeHostSession(platform);
        return ventaro::runVentaroApp(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "Ventaro: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
