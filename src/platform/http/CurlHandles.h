// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

#include <memory>

namespace tavelo {

/// Calls the function that libcurl has for ending a handle of its kind: they are all `void *`.
template <auto end>
struct CurlDeleter
{
    template <typename Handle>
    void operator()(Handle *handle) const
    {
        end(handle);
    }
};

using CurlEasy = std::unique_ptr<CURL, CurlDeleter<curl_easy_cleanup>>;
using CurlMulti = std::unique_ptr<CURLM, CurlDeleter<curl_multi_cleanup>>;
using CurlShare = std::unique_ptr<CURLSH, CurlDeleter<curl_share_cleanup>>;
using CurlList = std::unique_ptr<curl_slist, CurlDeleter<curl_slist_free_all>>;

} // namespace tavelo
