"""Feeds orvel-core requests, rubbish among them, and checks every answer.

usage: eval_test.py PATH-OF-ORVEL-CORE
"""

import base64
import json
import subprocess
import sys

BAD = {"error": "badRequest"}
ID = "abcdefghijklmnopabcdefghijklmnop"
ZIP = b"PK\x03\x04rest"


def encoded(data):
    return base64.b64encode(data).decode()


RELEASE = {"version": "1.2", "build": 2 ** 63 - 1, "url": "https://a.test/?q=a|b",
           "archive": "http://a.test/z", "signature": "s"}


def release(**changes):
    return {"op": "updateRelease", "json": json.dumps({**RELEASE, **changes})}


CASES = [
    ({"op": "explicitURL", "text": " Example.com/ü "}, "https://Example.com/ü"),
    ({"op": "displayHost", "url": "https://www.a.test/"}, "a.test"),
    ({"op": "displayHost", "url": "no address"}, BAD),
    ({"op": "siteKey", "url": "https://x.a.test/"}, "a.test"),
    ({"op": "searchURL", "engine": "kagi", "query": "a b"}, "https://kagi.com/search?q=a%20b"),
    ({"op": "suggestionsURL", "engine": "bing", "query": "+"},
     "https://api.bing.com/osjson.aspx?query=%2B"),
    ({"op": "suggestions", "data": '["q",["a","b"],5]'}, ["a", "b"]),
    ({"op": "shortcut", "text": "GH a&b"},
     {"keyword": "gh", "query": "a&b", "url": "https://github.com/search?q=a%26b"}),
    ({"op": "shortcut", "text": "k q",
      "shortcuts": [{"keyword": "k", "name": "n", "template": "a b%s"}]},
     {"keyword": "k", "query": "q", "url": None}),
    ({"op": "shortcut", "text": "k q", "shortcuts": [{"keyword": "k"}]}, BAD),
    ({"op": "strip", "url": "https://a.test/?utm_x=1&b=%20#c"}, "https://a.test/?b=%20#c"),
    ({"op": "listing", "url": "https://chromewebstore.google.com/detail/n/" + ID}, "chrome:" + ID),
    ({"op": "zipArchive", "base64": encoded(b"Cr24\3\0\0\0\1\0\0\0h" + ZIP)}, encoded(ZIP)),
    ({"op": "zipArchive", "base64": encoded(b"Cr24")}, {"error": "notAnExtension"}),
    ({"op": "zipArchive", "base64": "no base64!"}, BAD),
    ({"op": "linkRoute", "pattern": "A.test/x/", "url": "https://b.a.test/X/y"}, True),
    ({"op": "complete", "typed": "Exa", "urls": ["https://www.example.com/a"]}, "Example.com"),
    ({"op": "choices", "events": [
        {"record": ["git", "a", 1]}, {"record": ["gi", "a", 2.5]},
        {"top": ["g", ["a", "b"]]}, {"top": ["git", ["a"]]}, {"top": ["g", ["b"]]},
        {"forget": "a"}, {"top": ["g", ["a"]]}]}, ["a", None, None, None]),
    ({"op": "choices", "events": [{"record": ["a", "b", 1e300]}]}, BAD),
    ({"op": "nearestTheme", "hue": 0}, "cognac"),
    ({"op": "wandered", "pinned": "https://a.test/", "url": "https://a.test?x"}, True),
    ({"op": "siteName", "title": "A - B", "url": None}, "B"),
    ({"op": "resized", "shares": [0.5, 0.25, 0.25], "index": 1, "delta": -1}, [0.5, 0.15, 0.35]),
    ({"op": "resized", "shares": [0.5, 0.5], "index": -1, "delta": 0}, BAD),
    ({"op": "downloadName", "suggested": "/x/a.tar.gz", "existing": ["a.tar.gz"]}, "a.tar 2.gz"),
    (release(), RELEASE),
    (release(more=[1]), RELEASE),
    (release(archive=None, signature=None, build=-2.0),
     {"version": "1.2", "build": -2, "url": "https://a.test/?q=a|b"}),
    *((release(**wrong), {"error": "undecodable"}) for wrong in (
        {"version": None}, {"version": 1}, {"build": "7"}, {"build": 7.5}, {"build": 2 ** 63},
        {"build": None}, {"url": None}, {"url": "no address"}, {"url": 5}, {"archive": 5},
        {"archive": ""}, {"signature": 5})),
    ({"op": "updateRelease", "json": "[]"}, {"error": "undecodable"}),
    ({"op": "updateRelease", "json": "{"}, {"error": "undecodable"}),
    ({"op": "updateRelease"}, BAD),
    ({"op": "explicitURL"}, BAD),
    ({"op": "nothing", "text": "a"}, BAD),
    ({"text": "a"}, BAD),
]

RUBBISH = [
    b"", b" ", b"{", b"null", b"[]", b'"op"', b"{}{}", b'{"op":"explicitURL","text":"\xff"}',
    b'{"op":"explicitURL","text":"\\ud800"}', b"\x00", b"[" * 1_000_000,
    b'{"op":"suggestions","data":' + b"[" * 500_000 + b"]" * 500_000 + b"}",
    b'{"op":"resized","shares":[1e999],"index":0,"delta":0}',
]


def main(program):
    lines = [json.dumps(request, ensure_ascii=False).encode() for request, _ in CASES] + RUBBISH
    expected = [answer for _, answer in CASES] + [BAD] * len(RUBBISH)
    # A line that ends with the input instead of a line end counts too.
    run = subprocess.run([program, "eval"], input=b"\n".join(lines + [lines[0]]),
                         stdout=subprocess.PIPE, timeout=50, check=True)
    expected.append(expected[0])
    answers = run.stdout.decode().splitlines()
    failures = []
    if len(answers) != len(expected):
        failures.append(f"{len(expected)} requests, {len(answers)} answers")
    for line, text, answer in zip(lines + [lines[0]], answers, expected):
        if json.loads(text) != answer:
            failures.append(f"{line[:200]!r}: {text[:200]} instead of {json.dumps(answer)}")

    operations = {request["op"] for request, answer in CASES if answer != BAD}
    described = subprocess.run([program, "--help"], stdout=subprocess.PIPE, check=True).stdout
    failures += [f"--help says nothing about {op}" for op in sorted(operations)
                 if f'{{"op":"{op}"' not in described.decode()]
    if subprocess.run([program, "nothing"], stderr=subprocess.DEVNULL).returncode != 2:
        failures.append("an unknown command must end with 2")

    for failure in failures:
        print(failure)
    return 1 if failures else 0


sys.exit(main(sys.argv[1]))
