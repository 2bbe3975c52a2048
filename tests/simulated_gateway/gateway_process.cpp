// gateway_process STATE COUNT: opens a gateway on the state file and power-cycles it so many times,
// saying "." when it is open and after each time; then keeps it open until its input ends.
#include "simulated_gateway/simulated_gateway.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

int main(int argc, char **argv)
{
    if (argc != 3) {
        return 2;
    }
    SimulatedGatewayOptions options = {};
    options.state_file = argv[1];
    char error[512];
    if (simulated_gateway_open(&options, error, sizeof(error)) != 0) {
        std::fprintf(stderr, "%s\n", error);
        return 1;
    }
    for (long times = std::atol(argv[2]); write(STDOUT_FILENO, ".", 1) == 1 && times > 0; --times) {
        simulated_gateway_power_cycle();
    }
    char end_of_input;
    while (read(STDIN_FILENO, &end_of_input, 1) > 0) {
    }
    simulated_gateway_close();
    return 0;
}
