// A queue of 10,000 entries scrolls to its end while the page holds only the
// rows near the view, each in its place.
import assert from 'node:assert/strict';
import { scenario, row, shownTitles } from './harness.mjs';

const SIZE = 10000;

scenario('a 10,000-entry queue scrolls to the end with a bounded number of rows', { host: { args: ['--set', 'settings:/playlists/itemLimit=20000'] }, shot: 'longqueue-desktop-light' }, async ({ host, open }) => {
  await host.addTracks(0, Array.from({ length: SIZE }, (_, i) => `Track ${i + 1}`));
  const page = await open({ hash: '#' + ['playlists:/root', 'playlists:/queue'].map(encodeURIComponent).join('/') });
  await row(page, 'Track 1').waitFor();
  const fetched = [];
  page.on('request', (r) => r.url().includes('/api/v1/rows') && fetched.push(r.url()));

  const scroller = page.locator('.scroller');
  for (let step = 1; step <= 10; step++) {
    await scroller.evaluate((el, part) => (el.scrollTop = el.scrollHeight * part), step / 10);
    // Settled: the row at the top of the view is a fetched one.
    await page.waitForFunction(() => {
      const el = document.querySelector('.scroller');
      const top = el.getBoundingClientRect().top;
      return !el.querySelector('.placeholder') && [...el.querySelectorAll('.row')].some((r) => r.getBoundingClientRect().top <= top && r.getBoundingClientRect().bottom > top);
    });
    const titles = await shownTitles(page);
    assert.ok(titles.length > 10 && titles.length <= 200, `${titles.length} rows in the page`);
    const start = Math.min(...(await page.$$eval('.scroller .row', (rows) => rows.map((r) => Number(r.dataset.index)))));
    assert.deepEqual(titles, titles.map((_, i) => `Track ${start + i + 1}`));
  }
  await row(page, `Track ${SIZE}`).waitFor();
  assert.ok(fetched.length < 40, `${fetched.length} pages fetched`);

  // The keyboard goes to the top and back to the end.
  await row(page, `Track ${SIZE}`).getByRole('button').nth(1).focus();
  await page.keyboard.press('Home');
  await row(page, 'Track 1').waitFor();
  await page.keyboard.press('End');
  await page.waitForFunction((t) => document.activeElement.closest('.row')?.querySelector('.title')?.textContent === t, `Track ${SIZE}`);
  assert.ok((await page.locator('.scroller .row').count()) <= 200);
});
