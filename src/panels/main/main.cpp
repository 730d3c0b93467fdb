// tarvex: the desktop program.
#include "panels/TarvexApplication.h"

int main(int argc, char** argv) { return tarvex::tarvexMain(argc, argv); }
