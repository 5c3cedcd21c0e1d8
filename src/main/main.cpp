// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/Application.h"

int main(int argc, char **argv)
{
    tavelo::Application application(argc, argv);
    return application.show() ? application.run() : 1;
}
