// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Collection.h"

namespace tavelo {

const QList<Collection> &Collection::all()
{
    static const auto one = [](const char *id, const char *title, const char *name) {
        return Collection{QLatin1String(id), QLatin1String(title),
                          QStringLiteral("collection:(%1)").arg(QLatin1String(name))};
    };
    static const QList<Collection> collections = {
        one("feature_films", "Feature Films", "feature_films"),
        one("silent", "Silent Films", "silent_films"),
        one("noir", "Film Noir", "film_noir"),
        one("scifi", "Sci-Fi & Horror", "SciFi_Horror"),
        one("classic_tv", "Classic TV", "classic_tv"),
        one("animation", "Animation", "animationandcartoons"),
        one("prelinger", "Prelinger Archives", "prelinger"),
        one("comedy", "Comedy", "comedy_films"),
    };
    return collections;
}

} // namespace tavelo
