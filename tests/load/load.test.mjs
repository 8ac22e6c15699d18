// Two hundred requests at once, pages and static files mixed, from several sessions that each count their own page views.
// The server is the sanitized one, so that an exit code of 0 also says: no leak, no data race that corrupts memory.

import assert from 'node:assert/strict';
import { Agent, request } from 'node:http';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { startServer } from '../browser/server.mjs';

const AT_ONCE = 200;
const SESSIONS = 8;
const seconds = Number(process.env.LOAD_SECONDS ?? 3);

const agent = new Agent({ keepAlive: true, maxSockets: AT_ONCE });

/** One request: its status, headers and text. */
function get(url, headers = {}) {
    return new Promise((resolve, reject) => {
        const sent = request(url, { agent, headers }, (response) => {
            response.setEncoding('utf8');
            let text = '';
            response.on('data', (data) => { text += data; });
            response.on('end', () => resolve({ status: response.statusCode, headers: response.headers, text }));
            response.on('error', reject);
        });
        sent.on('error', reject);
        sent.end();
    });
}

/** A visitor: a session's cookie, and the numbers that the session's counter has given. */
async function newSession(url) {
    const first = await get(`${url}/count.asp`);
    assert.equal(first.text.trim(), '1');
    return { cookie: first.headers['set-cookie'][0].split(';')[0], counted: [1] };
}

const FILES = [
    ['/demo/smallest.asp', /Monsooned|Darjeeling/],
    ['/TabrixDb/tabrixdb.js', /grid_navigate/],
    ['/demo/orders.asp', /\[1-12\]/],
    ['/TabrixDb/Images/Ver2_picEdit.gif', /^GIF89a/],
    ['/demo/demo.css', /\.card/],
];

test(`${AT_ONCE} requests at once for ${seconds} s: no error, no crossed session, a clean end`, async (t) => {
    const server = await startServer({ extra: fileURLToPath(new URL('site/', import.meta.url)) });
    const sessions = await Promise.all(Array.from({ length: SESSIONS }, () => newSession(server.url)));
    const until = performance.now() + seconds * 1000;
    let served = 0;

    const visitor = async (number) => {
        const session = sessions[number % SESSIONS];
        const headers = { Cookie: session.cookie };
        for (let turn = number; performance.now() < until; turn += 1, served += 1) {
            if (turn % 2) {
                const answer = await get(`${server.url}/count.asp`, headers);
                assert.equal(answer.status, 200, answer.text);
                session.counted.push(Number(answer.text));
            } else {
                const [path, expected] = FILES[(turn / 2) % FILES.length];
                const answer = await get(server.url + path, headers);
                assert.equal(answer.status, 200, `${path}: ${answer.text}`);
                assert.match(answer.text, expected, path);
            }
        }
    };
    const failures = (await Promise.allSettled(Array.from({ length: AT_ONCE }, (_, number) => visitor(number))))
        .flatMap(({ reason }) => reason ?? []);
    agent.destroy();
    const code = await server.stop();
    assert.equal(code, 0, `the server ended with ${code}:\n${server.log()}`);
    assert.deepEqual(failures, [], server.log());

    // Every number once: a lost or a foreign count would leave a gap or a double.
    for (const { counted } of sessions) {
        assert.deepEqual(counted.sort((a, b) => a - b), counted.map((_, index) => index + 1));
    }
    t.diagnostic(`${served} requests served`);
    assert.ok(served >= AT_ONCE);
});
