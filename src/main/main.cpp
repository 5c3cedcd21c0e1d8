// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/Application.h"

int main(int argc, char **argv)
{
    tavelo::Application application(argc, argv);
    if (const auto code = application.claim())
        return *code;
    return application.show() ? application.run() : 1;
}
