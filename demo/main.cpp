// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoApplication.h"

int main(int argc, char **argv)
{
    tavelo::DemoApplication demo(argc, argv);
    demo.useServices();
    return demo.show() ? demo.run() : 1;
}
