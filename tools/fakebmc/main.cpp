// Serves a Redfish mockup folder on loopback until interrupted, for trying the tool by hand.
#include <signal.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

#include <boost/program_options.hpp>

#include "fakebmc/loopbackbmc.h"

namespace po = boost::program_options;

namespace {

// Blocks SIGINT and SIGTERM in every thread, then waits for one of them here.
void WaitForStopSignal(sigset_t& signals)
{
    int received = 0;
    sigwait(&signals, &received);
}

}  // namespace

int main(int argc, char** argv)
{
    LoopbackBmc::Options options;
    std::string certOut;
    int pageSize = 0;
    int failFirst = 0;
    int latencyMs = 0;
    po::options_description described(
        "kestro-fake-bmc: serve a Redfish mockup folder (<root>/redfish/v1/.../index.json)\n"
        "A two-socket server is installed with it: --root " KESTRO_FAKEBMC_MOCKUPS "/full\n"
        "(in a source checkout: tests/fixtures/bmc/full)");
    described.add_options()
        ("help,h", "show this help")
        ("root,r", po::value<std::string>(&options.fixtureRoot)->required(), "mockup folder")
        ("address,a", po::value<std::string>(&options.address)->default_value("127.0.0.1"), "address to bind, e.g. ::1")
        ("port,p", po::value<unsigned short>(&options.port)->default_value(0), "port; 0 picks a free one")
        ("https", po::bool_switch(&options.https), "serve HTTPS with a fresh self-signed certificate")
        ("cert-out", po::value<std::string>(&certOut), "write the certificate (PEM) to this file")
        ("user,u", po::value<std::string>(&options.user), "require basic authentication with this user")
        ("password", po::value<std::string>(&options.password), "password of --user")
        ("page-size", po::value<int>(&pageSize)->default_value(0), "members per collection page; 0: no paging")
        ("fail-first", po::value<int>(&failFirst)->default_value(0), "answer 503 to this many first requests")
        ("latency-ms", po::value<int>(&latencyMs)->default_value(0), "delay of every answer");
    po::variables_map values;
    try {
        po::store(po::parse_command_line(argc, argv, described), values);
        if (values.count("help")) {
            std::cout << described << "\n";
            return EXIT_SUCCESS;
        }
        po::notify(values);
    } catch (const po::error& error) {
        std::cerr << "kestro-fake-bmc: " << error.what() << "\n" << described << "\n";
        return EXIT_FAILURE;
    }

    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    LoopbackBmc bmc(options);
    try {
        bmc.Start();
    } catch (const std::exception& error) {
        std::cerr << "kestro-fake-bmc: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
    bmc.SetPageSize(static_cast<std::size_t>(pageSize > 0 ? pageSize : 0));
    bmc.FailFirst(failFirst);
    bmc.SetLatency(latencyMs);
    if (!certOut.empty())
        std::ofstream(certOut.c_str()) << bmc.CertificatePem();
    std::cout << "Serving " << options.fixtureRoot << " at " << bmc.BaseUrl() << "/redfish/v1" << std::endl;
    WaitForStopSignal(signals);
    bmc.Stop();
    std::cout << "Stopped after " << bmc.RequestCount() << " requests" << std::endl;
    return EXIT_SUCCESS;
}
