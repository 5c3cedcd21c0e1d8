// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoPage.h"

namespace tavelo {

HttpAnswer DemoPage::of(const QString &title, const QString &body)
{
    const QString page =
        QStringLiteral("<!doctype html><html><head><meta charset=\"utf-8\"><title>%1</title></head>"
                       "<body><h1 dir=\"auto\">%1</h1>%2</body></html>");
    return HttpAnswer::text(200, page.arg(title.toHtmlEscaped(), body).toUtf8(),
                            "text/html; charset=utf-8");
}

} // namespace tavelo
