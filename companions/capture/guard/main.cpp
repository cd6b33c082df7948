#include "platform/guarded_child.h"

int main(int argc, char **argv)
{
    return tollivar::platform::runGuardian(argc, argv);
}
