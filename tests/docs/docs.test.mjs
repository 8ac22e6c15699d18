// What the documentation shows is what the program does.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { program, root } from '../browser/server.mjs';

const read = (path) => readFileSync(join(root, path), 'utf8');
const blocks = (text, language) => [...text.matchAll(new RegExp(`^\`\`\`${language}\\n(.*?)^\`\`\``, 'gms'))].map(([, code]) => code);

test('the complete page of the README is the smallest page of the demo', () => {
    assert.equal(blocks(read('README.md'), 'asp')[0], read('site/demo/smallest.asp'));
});

test('every setting stands in the documentation and in the site with the same default', () => {
    const documented = [...read('docs/settings.md').matchAll(/^\| `(\w+)\.(\w+)` \| `(.*?)` \|/gm)]
        .map(([, , name, value]) => [name, value.replace(/", \.\.\.\]$/, '')]);
    const commented = new Map([...read('site/tabrixdb.toml').matchAll(/^#(\w+) = (.*?)(?:\s+#.*)?$/gm)].map(([, name, value]) => [name, value]));
    assert.deepEqual(documented.map(([name]) => name), [...commented.keys()]);
    for (const [name, value] of documented) assert.ok(commented.get(name).startsWith(value), name);
});

test('the first steps lead to a grid', (t) => {
    const folder = mkdtempSync(join(tmpdir(), 'tabrixdb-'));
    t.after(() => rmSync(folder, { recursive: true, force: true }));
    const steps = read('docs/getting-started.md');
    const site = join(folder, 'my-site');
    cpSync(join(root, 'site/TabrixDb'), join(folder, 'site/TabrixDb'), { recursive: true });
    execFileSync('bash', ['-euc', blocks(steps, 'sh').find((code) => code.includes('mkdir'))], { cwd: folder });

    const [page, templated] = blocks(steps, 'asp');
    const run = (text) => {
        writeFileSync(join(site, 'default.asp'), text);
        return execFileSync(program, ['run', join(site, 'default.asp')], { encoding: 'utf8', stdio: 'pipe' });
    };
    assert.match(run(page), /<b>Of tables and rows<\/b>.*<b>1998<\/b>.*<b>18\.5<\/b>/);
    writeFileSync(join(site, 'books.htm'), blocks(steps, 'html').find((code) => code.includes('content_start')));
    const html = run(page.replace('db.CreateGrid "books", "books"\n', templated));
    assert.match(html, /<tr><td>The patient query \(2004\)<\/td><td>24\.00<\/td><\/tr>/);
    assert.match(html, />Back<\/a> 1 \/ 1 <a /);
});
