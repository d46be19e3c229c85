# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by the benchmarks that submit. $cli is the command line's program, $port the server's.

# make_home HOME COUNT: a home with a website, site.kws, and engines that differ in method, type and limits, all at the same server.
make_home() {
    mkdir -p "$1/data"
    awk -v n="$2" -v port="$port" 'BEGIN {
        split("ENG DIR FFA NEWS MALL HOT MIS", types)
        for (i = 1; i <= n; ++i) {
            printf "Name=Engine %d\nHome=http://127.0.0.1:%d/\nAddURL=http://127.0.0.1:%d/add\nCountry=US\nType=%s\n", i, port, port, types[i % 7 + 1]
            printf "Category=G\nMethod=%s\nAction=http://127.0.0.1:%d/submit\n", i % 2 ? "POST" : "GET", port
            printf "Query=url=<URL>&title=<TITLE>&email=<EMAIL>&category=<CATEGORY>&description=<DESCRIPTION>&n=%d\n", i
            printf "MaxTitle=60\nMaxDescription=80\nAdults=N\nSiteLevel=2\n"
        }
        print "END:Version 6.0" }' >"$1/data/krveng5.dat"
    printf '[General For All Links]\nBusiness and Finance=7\nOther=1\nEND\n' >"$1/data/catkws.dat"
    "$cli" --home "$1" --quiet website set "$1/site.kws" Title="Lantern Bicycle Repairs" Description="Mends bicycles" \
        MainCategory="Business and Finance" Email=ada@lantern.example YourName="Ada Lantern" Country=Australia
    "$cli" --home "$1" --quiet website add-url "$1/site.kws" http://www.lantern.example/
}
