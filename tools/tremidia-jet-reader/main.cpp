// tremidia-jet-reader: reads one Jet file, given on standard input, through libmdb and
// writes the SQLite database it makes to standard output, with progress on the way
// (jetreaderprocess.h). The program and tremidia-content start it for each Jet file they
// import; it is not meant to be run by hand.
#include <jetreaderprocess.h>

int main(int argc, char **argv)
{
    return content::jet::runReaderProcess(argc, argv);
}
