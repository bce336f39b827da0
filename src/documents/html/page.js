// Search, open and close, light and dark. Without this script the page is complete except for the bar at its top.
'use strict';
(() => {
  const byId = id => document.getElementById(id);
  const all = (selector, within = document) => Array.from(within.querySelectorAll(selector));
  // A document without components has no search field and no buttons to open and close.
  const search = byId('search');
  const found = byId('found');
  const cards = all('details.card');
  const nodes = all('.node');
  byId('bar').hidden = false;

  // --- Light and dark: follows the system until the switch is used ---
  const theme = byId('theme');
  const systemIsDark = matchMedia('(prefers-color-scheme: dark)');
  const showTheme = () => {
    const chosen = document.documentElement.dataset.theme;
    theme.setAttribute('aria-checked', String(chosen ? chosen === 'dark' : systemIsDark.matches));
  };
  theme.addEventListener('click', () => {
    document.documentElement.dataset.theme = theme.getAttribute('aria-checked') === 'true' ? 'light' : 'dark';
    showTheme();
  });
  systemIsDark.addEventListener('change', showTheme);
  showTheme();

  // --- Open and close ---
  const onClick = (id, open) => byId(id)?.addEventListener('click', () => cards.forEach(card => { card.open = open; }));
  onClick('open', true);
  onClick('close', false);

  // A link to a problem opens its component and reveals what the search has hidden.
  const linked = () => {
    try {
      return byId(decodeURIComponent(location.hash.slice(1)));
    } catch { // the fragment of the address may be any text
      return null;
    }
  };
  const reveal = () => {
    const target = linked();
    if (!target)
      return;
    if (search && target.closest('[hidden]')) {
      search.value = '';
      filter();
    }
    for (let outer = target.closest('details'); outer; outer = outer.parentElement.closest('details'))
      outer.open = true;
    target.scrollIntoView({block: 'center'});
  };
  addEventListener('hashchange', reveal);

  // Printed pages show everything.
  const onPaper = matchMedia('print');
  let closed = [];
  const unfold = () => {
    if (closed.length === 0) {
      closed = all('details:not([open])');
      closed.forEach(details => { details.open = true; });
    }
  };
  const foldAgain = () => {
    closed.forEach(details => { details.open = false; });
    closed = [];
  };
  addEventListener('beforeprint', unfold);
  addEventListener('afterprint', foldAgain);
  onPaper.addEventListener('change', () => { (onPaper.matches ? unfold : foldAgain)(); });

  // --- Search ---
  // Searches values, identifiers and kinds, but not member names, which all objects of a kind share.
  const textOf = (element, within) =>
    all('bdi, .number, .word, .kind', element).filter(part => part.closest(within) === element)
      .map(part => part.textContent).join('\n').toLowerCase();
  let index = null; // created on the first search, so that a large document opens quickly
  const makeIndex = () => {
    index = cards.map(card => ({
      card,
      text: textOf(card, 'details.card, .node'),
      nodes: all('.node', card).map(node => ({node, text: textOf(node, '.node'), drops: all('details.drop', node)})),
    }));
  };
  const plural = (count, word) => count + ' ' + word + (count === 1 ? '' : 's');
  const before = new Map(); // which details were open before the search opened or closed them
  const setOpen = (details, open) => {
    if (!before.has(details))
      before.set(details, details.open);
    details.open = open;
  };
  let matches = [];
  let current = -1;

  // Highlights without changing the document, if the browser supports it; at most a few hundred.
  const highlight = words => {
    if (!CSS.highlights)
      return;
    CSS.highlights.delete('found');
    const ranges = [];
    for (const element of words.length > 0 ? matches.concat(cards) : []) {
      if (element.hidden)
        continue;
      const part = element.matches('.card') ? element.querySelector('summary') : element;
      const walker = document.createTreeWalker(part, NodeFilter.SHOW_TEXT);
      while (walker.nextNode() && ranges.length < 500) {
        const text = walker.currentNode.data.toLowerCase();
        // If lower case changes the length, offsets in it do not match the text.
        if (text.length !== walker.currentNode.data.length || walker.currentNode.parentElement.closest('.name'))
          continue;
        for (const word of words) {
          for (let at = text.indexOf(word); at >= 0; at = text.indexOf(word, at + word.length)) {
            const range = new Range();
            range.setStart(walker.currentNode, at);
            range.setEnd(walker.currentNode, at + word.length);
            ranges.push(range);
          }
        }
      }
    }
    CSS.highlights.set('found', new Highlight(...ranges));
  };

  const filter = () => {
    const words = search.value.toLowerCase().split(/\s+/).filter(word => word !== '');
    if (index === null)
      makeIndex();
    nodes.forEach(node => node.removeAttribute('aria-current'));
    matches = [];
    current = -1;
    let cardCount = 0;
    for (const {card, text, nodes: inside} of index) {
      const elsewhere = words.filter(word => !text.includes(word)); // not in the texts of the component itself
      const whole = elsewhere.length === 0;
      let any = whole;
      for (const entry of inside) {
        const matched = whole || elsewhere.every(word => entry.text.includes(word));
        entry.node.hidden = !matched;
        if (!matched)
          continue;
        any = true;
        matches.push(entry.node);
        for (const drop of entry.drops) {
          const options = drop.lastElementChild.textContent.toLowerCase();
          const shown = drop.firstElementChild.textContent.toLowerCase();
          if (elsewhere.some(word => options.includes(word) ? !shown.includes(word) : false))
            setOpen(drop, true);
          else if (before.has(drop))
            drop.open = before.get(drop);
        }
      }
      card.hidden = !any;
      cardCount += any ? 1 : 0;
      if (words.length > 0)
        setOpen(card, any);
    }
    if (words.length === 0) {
      before.forEach((open, details) => { details.open = open; });
      before.clear();
      found.value = '';
    } else if (cardCount === 0) {
      found.value = 'Nothing found';
    } else {
      found.value = plural(matches.length, 'node') + ' in ' + plural(cardCount, 'component');
    }
    highlight(words);
  };

  search?.addEventListener('input', filter);
  search?.addEventListener('keydown', event => {
    if (event.key === 'Escape') {
      search.value = '';
      filter();
      event.preventDefault();
    } else if (event.key === 'Enter') { // on to the next match, or back with Shift
      event.preventDefault();
      if (search.value.trim() === '' || matches.length === 0)
        return;
      nodes.forEach(node => node.removeAttribute('aria-current'));
      const step = event.shiftKey ? -1 : 1;
      current = current < 0 ? (event.shiftKey ? matches.length - 1 : 0) : (current + step + matches.length) % matches.length;
      matches[current].setAttribute('aria-current', 'true');
      matches[current].scrollIntoView({block: 'center'});
      found.value = 'Node ' + (current + 1) + ' of ' + matches.length;
    }
  });
  reveal();
})();
