#include "DesktopIntegration.h"
#include "FileDescriptor.h"
#include "HostPlatform.h"
#include "HostSession.h"
#include "StartArguments.h"
#include "VentaroApp.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    try {
        ventaro::occupyStandardDescriptors();
        std::signal(SIGPIPE, SIG_IGN); // the reader of our errors may be gone before we are
        const std::string text = ventaro::textInsteadOfStart(argc, argv, VENTARO_VERSION);
        if (!text.empty()) {
            std::cout << text << std::flush;
            return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        ventaro::Platform& platform =
            ventaro::Platform::install(ventaro::makeHostPlatform(false).platform);
        platform.session = ventaro::makeHostSession(platform);
        return ventaro::runVentaroApp(argc, argv, ventaro::makeDesktopIntegration);
    } catch (const std::exception& error) {
        std::cerr << "Ventaro: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
