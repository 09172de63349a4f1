// SPDX-License-Identifier: MIT
#include "tools/qz/CommandLine.h"
#include "tools/qz/io/Interrupt.h"

int main(int argc, char** argv)
{
    QZ::Tool::InstallInterruptHandler();
    return QZ::Tool::CommandLine().Run(argc, argv);
}
