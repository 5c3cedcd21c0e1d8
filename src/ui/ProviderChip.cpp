// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/ProviderChip.h"

#include "platform/DisplayText.h"

namespace tavelo {

ProviderChip ProviderChip::of(const ProviderStatus &status)
{
    ProviderChip chip{.id = status.id.toString(), .text = DisplayText::name(status.name)};
    if (const auto *ok = std::get_if<ProviderStatus::Ok>(&status.state)) {
        chip.text += QLatin1String(": ") + QString::number(ok->count);
        chip.symbol = QStringLiteral("checkmark.circle.fill");
    } else if (const auto *failed = std::get_if<ProviderStatus::Failed>(&status.state)) {
        chip.text += QLatin1String(": ") + DisplayText::name(failed->message);
        chip.symbol = QStringLiteral("xmark.octagon.fill");
        chip.failed = true;
    }
    return chip;
}

} // namespace tavelo
