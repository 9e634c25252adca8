#include "apps/nezaiva/commands.h"

int main(int argumentCount, char** arguments)
{
    CLI::App app{"Loads plug-in libraries for the Ombrix renderer; lists, probes, bakes and renders them."};
    CLI11_PARSE(app, argumentCount, arguments);
    return kDone;
}
