// Two windows and curl on one device: each change shows everywhere within a
// second, and names full of markup, quotes, right-to-left text and emoji
// show as the text they are.
import assert from 'node:assert/strict';
import { scenario, row, menu } from './harness.mjs';

const HOSTILE = `<img src=x onerror="window.pwned=1"> "quoted" 'single' &amp; שלום עולם 🎧🎶`;
const SECOND = { timeout: 1000 };

scenario('a change in one window or from curl shows in the others within a second', { phone: true, shot: 'live-phone-light' }, async ({ host, open }) => {
  const hash = '#' + encodeURIComponent('playlists:/root');
  const first = await open({ hash });
  const second = await open({ hash, phone: false });

  const create = first.getByPlaceholder('Create New Playlist');
  await create.fill('Shared');
  await create.press('Enter');
  await row(second, 'Shared').waitFor(SECOND);

  // An open menu follows too.
  await row(second, 'Shared').getByRole('button', { name: 'More' }).click();
  await host.setData('playlists:/rename-playlist', { plid: 1, name: HOSTILE });
  await row(first, HOSTILE).waitFor(SECOND);
  await menu(second).getByRole('heading', { name: HOSTILE }).waitFor(SECOND);
  await row(second, HOSTILE).waitFor(SECOND);

  // Long enough to be still playing at a thousand times real time.
  await host.addTracks(0, [HOSTILE], 100000);
  await host.setData('playlists:/play-playlist', { plid: 0 });
  await first.getByRole('region', { name: 'Now playing' }).getByText(HOSTILE, { exact: true }).waitFor(SECOND);
  await host.setData('player:/volume', { type: 'i32_', i32_: 22 });
  await second.waitForFunction(() => document.getElementById('np-volume').value === '22', null, SECOND);

  for (const page of [first, second]) {
    assert.equal(await page.locator('img[src="x"]').count(), 0);
    assert.equal(await page.evaluate(() => window.pwned), undefined);
    assert.equal(await page.title(), `${HOSTILE} · Vexa`);
  }
});
