// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/RecordField.h"

#include <QMetaProperty>

namespace tavelo {

QString recordField(const QVariant &record, const QString &name)
{
    if (record.canConvert<QVariantMap>())
        return record.toMap().value(name).toString();
    const QMetaObject *type = record.metaType().metaObject();
    const int property = type ? type->indexOfProperty(name.toLatin1().constData()) : -1;
    if (property < 0)
        return {};
    return type->property(property).readOnGadget(record.constData()).toString();
}

} // namespace tavelo
