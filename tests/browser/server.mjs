// Starts the server on a copy of the site, as its owner would, and stops it again.

import { spawn, execFileSync } from 'node:child_process';
import { once } from 'node:events';
import { cpSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { fileURLToPath } from 'node:url';

export const root = fileURLToPath(new URL('../../', import.meta.url));
export const program = process.env.TABRIXDB ?? join(root, 'build/dev/tabrixdb');

/**
 * A running server: its address, the folder of its site, what it wrote so far, and stop(), which ends it and gives its
 * exit code (null when a signal ended it). extra is a folder whose files are laid over the site.
 */
export async function startServer({ extra } = {}) {
    const folder = mkdtempSync(join(tmpdir(), 'tabrixdb-'));
    const site = join(folder, 'site');
    cpSync(join(root, 'site'), site, { recursive: true, filter: (path) => !path.includes('shop.db') });
    if (extra) cpSync(extra, site, { recursive: true });

    const server = spawn(program, ['serve', site, '--port', '0'], { stdio: ['ignore', 'pipe', 'pipe'] });
    const written = [];
    server.stderr.on('data', (data) => written.push(String(data)));
    const exited = once(server, 'exit').catch((error) => [error.message]);
    const failed = exited.then(([code]) => {
        throw new Error(`the server ended (${code}) before it served:\n${written.join('')}`);
    });
    failed.catch(() => {});

    const listening = (async () => {
        for await (const line of createInterface({ input: server.stdout })) {
            const [, url] = line.match(/Serving .* at (http:\/\/\S+?)\/?$/) ?? [];
            if (url) return url;
        }
        return failed;
    })();
    const discard = () => rmSync(folder, { recursive: true, force: true });
    const url = await Promise.race([listening, failed]).catch((error) => { discard(); throw error; });
    server.stdout.resume();

    return {
        url,
        site,
        log: () => written.join(''),
        async stop() {
            server.kill('SIGTERM');
            const [code] = await exited;
            discard();
            return code;
        },
    };
}

/** The rows of a query on the shop's database, each an object. */
export function query(site, sql) {
    const rows = execFileSync('sqlite3', ['-readonly', '-json', join(site, 'demo/data/shop.db'), sql], { encoding: 'utf8' });
    return rows ? JSON.parse(rows) : [];
}
