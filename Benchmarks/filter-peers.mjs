// Times other parsers of filter lists on the texts that bench-FilterConversion reads.
//
//   npm install --no-save @ghostery/adblocker@2.18.2 @adguard/agtree@4.2.0
//   node Benchmarks/filter-peers.mjs [FILTERS]
//
// FILTERS is the folder with easylist.txt and easyprivacy.txt, by default where scripts/fetch-texts
// puts them. Prints one JSON object a line: the peer, the list, the best time in milliseconds and MB
// of text a second. The peers do less than the conversion: they build their own form of the filters
// and write no rules.

import { readFileSync } from 'node:fs';
import { join } from 'node:path';

import { FilterListParser } from '@adguard/agtree';
import { FiltersEngine, parseFilters } from '@ghostery/adblocker';

const filters = process.argv[2] ?? 'build/texts/Filters';
const rounds = 7;

const peers = {
  'ghostery parse': (text) => parseFilters(text),
  'ghostery engine': (text) => FiltersEngine.parse(text).serialize(),
  'agtree parse': (text) => FilterListParser.parse(text),
};

for (const list of ['easylist', 'easyprivacy']) {
  const text = readFileSync(join(filters, `${list}.txt`), 'utf8');
  for (const [peer, run] of Object.entries(peers)) {
    let best = Infinity;
    for (let round = 0; round < rounds; ++round) {
      const start = performance.now();
      run(text);
      best = Math.min(best, performance.now() - start);
    }
    const rate = Buffer.byteLength(text) / 1e3 / best;
    console.log(JSON.stringify({
      peer, list, milliseconds: Number(best.toFixed(1)), 'MB/s': Number(rate.toFixed(2)),
    }));
  }
}
